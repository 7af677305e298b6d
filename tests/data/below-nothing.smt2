; Nothing is less than the least, wherever it comes from.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 16))
(declare-const y (_ BitVec 16))
(declare-const z (_ BitVec 16))
(declare-const s (_ BitVec 16))
(assert (or (bvult x (bvand s (bvnot s))) (bvslt y (bvor #x8000 (bvand s #x0000))) (bvsgt z (bvlshr (bvor s (bvnot
  s)) #x0001))))
(check-sat)
