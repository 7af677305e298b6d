; Arithmetic with free constants: each assertion asks for the values of one operator's arguments.
; `lumo invert examples/arithmetic.smt2` answers all of them.
(set-logic QF_BV)

(declare-const a (_ BitVec 8))
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 8))
(declare-const d (_ BitVec 8))
(declare-const e (_ BitVec 8))
(declare-const f (_ BitVec 8))
(declare-const g (_ BitVec 128))

; Two free arguments: one takes the value, the other the neutral element.
(assert (= (bvadd a b) #x0c))
; One free argument and a numeral: the inverse operation gives the value, modulo 2^8.
(assert (= (bvsub #x05 c) #x07))
; An odd factor has an inverse modulo 2^8.
(assert (= (bvmul d #x03) #x40))
; An order atom must be true ...
(assert (bvult e #x10))
; ... or false.
(assert (not (bvsle f #x7e)))
; No width is too wide.
(assert (= #x0123456789abcdef0123456789abcdef (bvneg g)))
(check-sat)
