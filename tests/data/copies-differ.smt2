; Two halves of a repeated pattern are alike.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 11))
(assert (not (= ((_ extract 21 11) ((_ repeat 3) x)) ((_ extract 10 0) ((_ repeat 3) x)))))
(check-sat)
