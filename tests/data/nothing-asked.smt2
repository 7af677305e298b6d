; Constants, and nothing asserted.
(set-info :status sat)
(set-logic QF_BV)
(declare-const x (_ BitVec 8))
(declare-const p Bool)

(check-sat)
