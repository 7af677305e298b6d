; Three ways to find the lowest bit that is set.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 24))
(assert (distinct (bvand x (bvneg x)) (bvand x (bvnot (bvsub x #x000001)))))
(assert (= (bvand x (bvneg x)) (bvsub x (bvand x (bvsub x #x000001)))))
(check-sat)
