; Counting bits in parallel is counting them one by one.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 8))
(define-fun pairs () (_ BitVec 8) (bvsub x (bvand (bvlshr x #x01) #x55)))
(define-fun nibbles () (_ BitVec 8) (bvadd (bvand pairs #x33) (bvand (bvlshr pairs #x02) #x33)))
(define-fun count () (_ BitVec 8) (bvand (bvadd nibbles (bvlshr nibbles #x04)) #x0f))
(define-fun bit ((b (_ BitVec 1))) (_ BitVec 8) (concat #b0000000 b))
(define-fun slow () (_ BitVec 8) (bvadd (bit ((_ extract 0 0) x)) (bit ((_ extract 1 1) x)) (bit ((_ extract 2 2) x))
  (bit ((_ extract 3 3) x)) (bit ((_ extract 4 4) x)) (bit ((_ extract 5 5) x)) (bit ((_ extract 6 6) x)) (bit ((_
  extract 7 7) x))))
(assert (not (= count slow)))
(check-sat)
