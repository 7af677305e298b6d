; Three truth values are never all distinct.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const p Bool)
(declare-const q Bool)
(declare-const r Bool)
(assert (distinct p q r))
(check-sat)
