(declare-fun f (Bool) Bool)
(push 1)
(assert (forall ((x Bool)) (f x)))
