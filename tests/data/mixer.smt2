; A mixing function that only uses steps with an inverse has no collision.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 16))
(declare-const y (_ BitVec 16))
(define-fun mix ((v (_ BitVec 16))) (_ BitVec 16) (let ((w (bvxor v (bvlshr v #x0008)))) ((_ rotate_right 5) (bvadd w
  #x3c6f))))
(assert (= (mix x) (mix y)))
(assert (bvult x y))
(check-sat)
