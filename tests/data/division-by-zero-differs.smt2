; A quotient by zero that is neither of the two that there are.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 10))
(assert (not (= (bvsdiv x (_ bv0 10)) (_ bv1 10))))
(assert (not (= (bvsdiv x (_ bv0 10)) (bvnot (_ bv0 10)))))
(check-sat)
