; A rotation by the rest of the width undoes one, and is made of two shifts.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const x (_ BitVec 19))
(assert (or (distinct ((_ rotate_left 12) ((_ rotate_left 7) x)) x) (distinct ((_ rotate_left 5) x) ((_ rotate_right
  14) x)) (distinct ((_ rotate_right 3) x) (bvor (bvlshr x (_ bv3 19)) (bvshl x (_ bv16 19))))))
(check-sat)
