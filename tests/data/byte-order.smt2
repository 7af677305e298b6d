; Reversing the bytes of a word twice.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 64))
(define-fun swap ((v (_ BitVec 64))) (_ BitVec 64)
  (concat ((_ extract 7 0) v) ((_ extract 15 8) v) ((_ extract 23 16) v) ((_ extract 31 24) v)
          ((_ extract 39 32) v) ((_ extract 47 40) v) ((_ extract 55 48) v) ((_ extract 63 56) v)))
(assert (distinct (swap (swap x)) x))
(check-sat)
