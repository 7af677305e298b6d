; Nothing of this is left for a solver: from the inside out, all becomes one unconstrained Boolean. The second branch
; is no part of that, since z occurs three times, but with the condition free it does not matter.
(set-logic QF_BV)
(declare-const x (_ BitVec 64))
(declare-const y (_ BitVec 64))
(declare-const z (_ BitVec 16))
(declare-const p Bool)

(assert (ite p (= z ((_ extract 47 32) (bvmul x y))) (bvslt z ((_ rotate_left 3) z))))
(assert true)
(check-sat)
