; At width 1 the signed order is the unsigned one reversed.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const a (_ BitVec 1))
(declare-const b (_ BitVec 1))
(assert (distinct (bvslt a b) (bvult b a)))
(check-sat)
