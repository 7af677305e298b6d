; The product of two half words fits; its upper bit tells nothing.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 16))
(declare-const y (_ BitVec 16))
(assert (not (= ((_ extract 32 32) (bvmul ((_ zero_extend 17) x) ((_ zero_extend 17) y))) #b0)))
(check-sat)
