; Quotient times divisor plus remainder is the dividend, unsigned and signed.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 6))
(declare-const y (_ BitVec 6))
(assert (or (distinct x (bvadd (bvmul (bvudiv x y) y) (bvurem x y))) (distinct x (bvadd (bvmul (bvsdiv x y) y)
  (bvsrem x y)))))
(check-sat)
