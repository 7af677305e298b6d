; Extending in one step or two, with the sign or without.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 31))
(declare-const y (_ BitVec 31))
(assert (or (distinct ((_ sign_extend 33) x) ((_ sign_extend 20) ((_ sign_extend 13) x))) (and (bvsge y (_ bv0 31))
  (distinct ((_ sign_extend 3) y) ((_ zero_extend 3) y)))))
(check-sat)
