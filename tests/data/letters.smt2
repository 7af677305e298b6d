; The sum of letters SEND + MORE = MONEY.
(set-info :status sat)
(set-logic QF_BV)
(declare-const S (_ BitVec 4))
(declare-const E (_ BitVec 4))
(declare-const N (_ BitVec 4))
(declare-const D (_ BitVec 4))
(declare-const M (_ BitVec 4))
(declare-const O (_ BitVec 4))
(declare-const R (_ BitVec 4))
(declare-const Y (_ BitVec 4))
(assert (bvult S #xa))
(assert (bvult E #xa))
(assert (bvult N #xa))
(assert (bvult D #xa))
(assert (bvult M #xa))
(assert (bvult O #xa))
(assert (bvult R #xa))
(assert (bvult Y #xa))
(assert (distinct S E N D M O R Y))
(assert (not (= S #x0)))
(assert (not (= M #x0)))
(assert (= (bvadd (bvadd (bvmul (_ bv1 20) ((_ zero_extend 16) D)) (bvmul (_ bv10 20) ((_ zero_extend 16) N)) (bvmul
  (_ bv100 20) ((_ zero_extend 16) E)) (bvmul (_ bv1000 20) ((_ zero_extend 16) S))) (bvadd (bvmul (_ bv1 20) ((_
  zero_extend 16) E)) (bvmul (_ bv10 20) ((_ zero_extend 16) R)) (bvmul (_ bv100 20) ((_ zero_extend 16) O)) (bvmul
  (_ bv1000 20) ((_ zero_extend 16) M)))) (bvadd (bvmul (_ bv1 20) ((_ zero_extend 16) Y)) (bvmul (_ bv10 20) ((_
  zero_extend 16) E)) (bvmul (_ bv100 20) ((_ zero_extend 16) N)) (bvmul (_ bv1000 20) ((_ zero_extend 16) O)) (bvmul
  (_ bv10000 20) ((_ zero_extend 16) M)))))
(check-sat)
