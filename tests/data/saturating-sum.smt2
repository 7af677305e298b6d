; Adding with saturation, by one carry or by a wider sum.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 8))
(declare-const y (_ BitVec 8))
(define-fun sum () (_ BitVec 8) (bvadd x y))
(define-fun wide () (_ BitVec 9) (bvadd (concat #b0 x) (concat #b0 y)))
(assert (distinct (ite (bvult sum x) #xff sum) (ite (= ((_ extract 8 8) wide) #b1) #xff ((_ extract 7 0) wide))))
(check-sat)
