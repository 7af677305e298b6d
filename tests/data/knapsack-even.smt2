; Even weights never reach an odd sum, even modulo 2^16.
(set-info :status unsat)
(set-logic QF_BV)
(declare-const a (_ BitVec 16))
(declare-const b (_ BitVec 16))
(declare-const c (_ BitVec 16))
(assert (= (bvadd (bvmul #x0006 a) (bvmul #x000a b) (bvmul #x0024 c)) #x0101))
(check-sat)
