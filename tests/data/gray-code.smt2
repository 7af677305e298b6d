; Codes of neighbours differ in one bit.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const n (_ BitVec 8))
(define-fun gray ((m (_ BitVec 8))) (_ BitVec 8) (bvxor m (bvlshr m #x01)))
(define-fun change () (_ BitVec 8) (bvxor (gray n) (gray (bvadd n #x01))))
(assert (or (= change #x00) (not (= (bvand change (bvsub change #x01)) #x00))))
(check-sat)
