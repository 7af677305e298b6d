; Requests that are refused. `lumo invert` reports each on standard error, answers the others, and ends with exit
; status 1.
(set-logic QF_BV)

(declare-const p Bool)
(declare-const x (_ BitVec 8))
(declare-const y (_ BitVec 8))
(declare-const z (_ BitVec 8))

; 1: This one has an answer.
(assert (= (bvadd x y) #x05))
; 2: The largest value has no neighbour above it.
(assert (bvult #xff z))
; 3: An even factor has no inverse.
(assert (= (bvmul z #x02) #x06))
; 4: The calculator treats both arguments as different constants.
(assert (= (bvadd z z) #x06))
; 5: Only constants can be defined, and (bvmul x y) would need the value 4.
(assert (= (bvadd (bvmul x y) #x01) #x05))
; 6: The first assertion has given x another value.
(assert (= (bvsub x #x01) #x08))
; 7: This is not an application.
(assert p)
; 8, 9: The calculators of remainders refuse every call.
(assert (= (bvurem y z) #x07))
(assert (= (bvsrem y z) #x07))
(check-sat)
