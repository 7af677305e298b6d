; No square is 2 modulo 65536. The order atom says nothing, since a occurs once.
(set-logic QF_BV)
(declare-const key (_ BitVec 16))
(declare-const a (_ BitVec 16))

(assert (bvult (bvurem key #x0007) (bvadd key a)))
(assert (= (bvmul key key) #x0002))
(check-sat)
