; bvcomp is equality.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const a (_ BitVec 64))
(declare-const b (_ BitVec 64))
(assert (distinct (= (bvcomp a b) #b1) (= a b)))
(check-sat)
