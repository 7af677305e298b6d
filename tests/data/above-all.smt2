; A term that some free constant exceeds is not the greatest.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 9))
(declare-const y (_ BitVec 9))
(declare-const t (_ BitVec 9))
(assert (bvugt x (bvadd t t (_ bv1 9))))
(assert (bvuge (bvadd t t (_ bv1 9)) (bvnot (_ bv0 9))))
(check-sat)
