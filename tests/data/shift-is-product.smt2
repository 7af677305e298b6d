; A shift to the left is a multiplication by a power of two.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 6))
(declare-const k (_ BitVec 6))
(assert (bvult k (_ bv6 6)))
(assert (distinct (bvshl x k) (bvmul x (bvshl (_ bv1 6) k))))
(check-sat)
