; One step of a multiplicative hash with a free state: the whole can be eliminated.
(set-info :status sat)
(set-logic QF_BV)
(declare-const state (_ BitVec 64))
(declare-const key (_ BitVec 64))
(assert (= (bvxor (bvmul (bvxor state ((_ rotate_left 13) key)) #x9ddfea08eb382d69) #x00000000ffffffff)
  #x0123456789abcdef))
(check-sat)
