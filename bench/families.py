#!/usr/bin/env python3
"""Writes scripts of three made-up families, for effect.py: bench/families.py FOLDER [--scripts N]

explore   a path of a program that reads free inputs: each branch compares a function of inputs that occur once with
          a function of a state that all branches use
hardware  steps of a circuit with registers, of whose inputs and outputs the property uses a few
checksum  a message of free words whose sum, weighted and rotated, must be a given number, and two relations
          between its words

The numbers in them are random, with fixed seeds. They come from no real program or circuit: they show what elimination
does where a script has such inputs, not how often scripts have them.
"""

import argparse
import pathlib
import random


def make_explore(numbers, size):
    text = ["(declare-const s (_ BitVec 16))"]
    for i in range(size):
        text.append(f"(declare-const a{i} (_ BitVec 16))\n(declare-const b{i} (_ BitVec 16))")
        factor = 2 * numbers.randrange(2 ** 15) + 1
        inputs = f"(bvadd (bvmul a{i} #x{factor:04x}) (bvmul b{i} b{i}))"
        state = f"(bvmul (bvor s #x{numbers.randrange(2 ** 16):04x}) #x{numbers.randrange(2 ** 16):04x})"
        order = numbers.choice(["bvult", "bvsle", "="])
        text.append(f"(assert ({order} {inputs} {state}))")
    text.append(f"(assert (= (bvurem s #x{numbers.randrange(3, 2 ** 12):04x}) #x0002))")
    return text


def make_hardware(numbers, size):
    text, registers = [], ["#x00"] * 4
    for i in range(size):
        for j in range(4):
            text.append(f"(declare-const r{i}_{j} (_ BitVec 8))\n(declare-const d{i}_{j} (_ BitVec 8))")
        text.append(f"(declare-const e{i} Bool)")
        step = [f"(ite e{i} (bvadd {registers[0]} #x01) {registers[0]})",
                f"(bvxor d{i}_1 (bvmul {registers[1]} #x{numbers.randrange(256):02x}))",
                f"(bvadd (bvmul d{i}_2 d{i}_3) {registers[2]})",
                f"(concat ((_ extract 3 0) d{i}_0) ((_ extract 7 4) {registers[3]}))"]
        text += [f"(assert (= r{i}_{j} {value}))" for j, value in enumerate(step)]
        registers = [f"r{i}_{j}" for j in range(4)]
    text.append(f"(assert (= {registers[0]} #x{numbers.randrange(size):02x}))")
    if numbers.random() < 0.5:
        text.append(f"(assert (bvugt {registers[0]} #x{size:02x}))")
    return text


def make_checksum(numbers, size):
    total = "#x00000000"
    text = []
    for i in range(size):
        text.append(f"(declare-const w{i} (_ BitVec 32))")
        weighted = f"(bvmul w{i} #x{2 * numbers.randrange(2 ** 31) + 1:08x})"
        total = f"((_ rotate_left {numbers.randrange(1, 32)}) (bvadd {total} {weighted}))"
    text.append(f"(assert (= {total} #x{numbers.randrange(2 ** 32):08x}))")
    for _ in range(2):
        i, j = numbers.sample(range(size), 2)
        text.append(f"(assert (bvult (bvmul w{i} w{j}) (bvudiv w{j} #x{numbers.randrange(1, 256):08x})))")
    return text


FAMILIES = {"explore": make_explore, "hardware": make_hardware, "checksum": make_checksum}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--scripts", type=int, default=20, help="of each family")
    options = parser.parse_args()
    for name, make in FAMILIES.items():
        folder = options.folder / name
        folder.mkdir(parents=True, exist_ok=True)
        for i in range(options.scripts):
            numbers = random.Random(f"{name} {i}")
            lines = ["(set-logic QF_BV)", *make(numbers, 4 + 2 * i), "(check-sat)", ""]
            (folder / f"{name}-{i:03}.smt2").write_text("\n".join(lines), encoding="utf-8")


if __name__ == "__main__":
    main()
