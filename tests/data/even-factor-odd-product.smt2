; An even factor and an odd product.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 16))
(declare-const y (_ BitVec 16))
(assert (= (bvmul #x0018 x) (bvor (bvshl y #x0001) #x0001)))
(check-sat)
