; An arithmetic shift is a division that rounds down.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 8))
(assert (not (= (bvashr x #x02) (bvsdiv (bvsub x (bvsmod x #x04)) #x04))))
(check-sat)
