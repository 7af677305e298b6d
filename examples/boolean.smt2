; Boolean connectives.
(set-logic QF_UF)

(declare-const p Bool)
(declare-const q Bool)
(declare-const r Bool)
(declare-const s Bool)
(declare-const t Bool)
(declare-const |free, too| Bool)

; A connective alone must be true.
(assert (and p q))
; Under a negation it must be false; so both arguments become false.
(assert (not (or r s)))
; An equivalence with a literal on one side asks for the other side: (not t) must be false.
(assert (= (not t) false))
; A negated constant is an application of not.
(assert (not |free, too|))
(check-sat)
