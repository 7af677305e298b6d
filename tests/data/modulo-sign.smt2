; The sign of bvsmod is that of the divisor, the sign of bvsrem that of the dividend.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 7))
(declare-const y (_ BitVec 7))
(assert (not (= y (_ bv0 7))))
(assert (or (and (not (= (bvsmod x y) (_ bv0 7))) (xor (bvslt (bvsmod x y) (_ bv0 7)) (bvslt y (_ bv0 7)))) (and (not
  (= (bvsrem x y) (_ bv0 7))) (xor (bvslt (bvsrem x y) (_ bv0 7)) (bvslt x (_ bv0 7))))))
(check-sat)
