; The three remainders of one division, all different.
(set-info :status sat)
(set-logic QF_BV)
(declare-const x (_ BitVec 8))
(declare-const y (_ BitVec 8))
(assert (distinct (bvurem x y) (bvsrem x y) (bvsmod x y)))
(assert (bvslt y #x00))
(assert (bvsgt x #x0a))
(check-sat)
