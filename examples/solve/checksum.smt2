; |check sum|, a, b and is-signed occur only once, so they can take any value, and so can applications to them.
(set-logic QF_BV)
(declare-const key (_ BitVec 8))
(declare-const a (_ BitVec 8))
(declare-const b (_ BitVec 8))
(declare-const |check sum| (_ BitVec 8))
(declare-const is-signed Bool)

(assert (= |check sum| (bvadd (bvmul key #x11) a)))
(assert (bvult (bvurem key #x0d) (bvadd b #x01)))
(assert (=> is-signed (bvslt #x00 key)))
; A remainder stays, so the solver has to find the key.
(assert (= (bvurem key #x0d) #x0a))
(assert (bvult #xf0 key))
(check-sat)
