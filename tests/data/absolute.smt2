; The absolute value without a branch.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 32))
(define-fun s () (_ BitVec 32) (bvashr x #x0000001f))
(assert (distinct (bvsub (bvxor x s) s) (ite (bvslt x #x00000000) (bvneg x) x)))
(check-sat)
