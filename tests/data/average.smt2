; The average of two words needs no wider sum.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 32))
(declare-const y (_ BitVec 32))
(define-fun sum () (_ BitVec 33) (bvadd ((_ zero_extend 1) x) ((_ zero_extend 1) y)))
(assert (not (= (bvadd (bvand x y) (bvlshr (bvxor x y) #x00000001)) ((_ extract 32 1) sum))))
(check-sat)
