; Shifting out all bits, by amounts that are terms.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 16))
(declare-const k (_ BitVec 16))
(assert (bvuge k #x0010))
(assert (or (not (= (bvshl x k) #x0000)) (not (= (bvlshr x k) #x0000)) (not (= (bvashr x k) (ite (bvslt x #x0000)
  #xffff #x0000)))))
(check-sat)
