; If-then-else: the calculator chooses the condition that selects a branch which can take the value.
(set-logic QF_BV)

(declare-const c Bool)
(declare-const d Bool)
(declare-const x (_ BitVec 8))
(declare-const y (_ BitVec 8))
(declare-const u (_ BitVec 8))
(declare-const v (_ BitVec 8))
(declare-const w (_ BitVec 8))

; Both branches are free: the condition becomes true, and both take the value.
(assert (= (ite c x y) #x05))
; The first branch is a numeral: the condition becomes false.
(assert (= (ite d #x01 u) #x07))
; The branch that is not selected is an application; it needs no value, so only v gets one.
(assert (= (ite true v (bvmul v w)) #x09))
(check-sat)
