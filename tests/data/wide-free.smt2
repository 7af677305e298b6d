; Constants of 128 bits that occur once, below all kinds of operators.
(set-info :status sat)
(set-logic QF_BV)
(declare-const a (_ BitVec 128))
(declare-const b (_ BitVec 128))
(declare-const c (_ BitVec 128))
(declare-const d (_ BitVec 128))
(declare-const k (_ BitVec 64))
(assert (= (bvmul (bvadd a #x0123456789abcdef0123456789abcdef) #xfedcba9876543210fedcba9876543211) (concat k (bvnot
  k))))
(assert (bvslt (bvxor b (concat k k)) c))
(assert (= ((_ extract 100 37) d) (bvmul k k)))
(assert (distinct k #x0000000000000000))
(check-sat)
