; The laws of complement for both kinds of gates.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 128))
(declare-const y (_ BitVec 128))
(assert (or (distinct (bvnand x y) (bvor (bvnot x) (bvnot y))) (distinct (bvnor x y) (bvand (bvnot x) (bvnot y)))
  (distinct (bvxnor x y) (bvor (bvand x y) (bvnor x y)))))
(check-sat)
