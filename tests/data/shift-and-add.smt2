; Multiplication by shifting and adding.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 5))
(declare-const y (_ BitVec 5))
(define-fun pick ((b (_ BitVec 1)) (v (_ BitVec 5))) (_ BitVec 5) (bvand ((_ repeat 5) b) v))
(assert (not (= (bvmul x y) (bvadd (pick ((_ extract 0 0) y) (bvshl x #b00000)) (pick ((_ extract 1 1) y) (bvshl x
  #b00001)) (pick ((_ extract 2 2) y) (bvshl x #b00010)) (pick ((_ extract 3 3) y) (bvshl x #b00011)) (pick ((_
  extract 4 4) y) (bvshl x #b00100))))))
(check-sat)
