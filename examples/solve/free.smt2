; Nothing is left for a solver: from the inside out, everything becomes one unconstrained Boolean. The second branch
; is not free, since z occurs three times, but this does not matter, since the condition is free.
(set-logic QF_BV)
(declare-const x (_ BitVec 64))
(declare-const y (_ BitVec 64))
(declare-const z (_ BitVec 16))
(declare-const p Bool)

(assert (ite p (= z ((_ extract 47 32) (bvmul x y))) (bvslt z ((_ rotate_left 3) z))))
(assert true)
(check-sat)
