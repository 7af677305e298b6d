"""Makes mutants of C++ sources: the same text with one small mistake.

The sources are read as tokens, not parsed, and rely on the layout that clang-format gives them: an operator with
blanks on both sides is binary, angle brackets without blanks hold template arguments. Most mutants of
misread tokens do not compile.
"""

import re
from dataclasses import dataclass

TOKEN = re.compile(
    r"""(?P<skip>\s+|//[^\n]*|/\*.*?\*/)
      | (?P<directive>(?<![^\n])[ ]*\#(?:\\\n|[^\n])*)
      | (?P<text>"(?:\\.|[^"\\])*")
      | (?P<char>'(?:\\.|[^'\\])+')
      | (?P<fraction>[0-9]+\.[0-9]+)
      | (?P<number>0[xX][0-9a-fA-F]+[uUlL]*|[0-9]+[uUlL]*)
      | (?P<name>[A-Za-z_]\w*)
      | (?P<mark><<=|>>=|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||\+=|-=|\*=|/=|%=|&=|\|=|\^=|::|\[\[|\]\]|.)
    """,
    re.VERBOSE | re.DOTALL,
)

BINARY = {
    "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"], "==": ["!="], "!=": ["=="],
    "&&": ["||"], "||": ["&&"],
    "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"],
    "<<": [">>"], ">>": ["<<"], "&": ["|"], "|": ["&"], "^": ["&"],
    "+=": ["-="], "-=": ["+="], "*=": ["+="], "/=": ["*="], "&=": ["|="], "|=": ["&="], "^=": ["&="],
}
COMPARISONS = {"<", "<=", ">", ">=", "==", "!="}
WORDS = {"true": "false", "false": "true", "LONG_MAX": "(LONG_MAX - 1)", "LONG_MIN": "(LONG_MIN + 1)"}
# Names that are easily confused
NAMES = {"plus_one": "minus_one", "minus_one": "plus_one", "make_true": "make_false", "make_false": "make_true",
         "make_sum": "make_difference", "make_difference": "make_sum", "is_bv_ult": "is_bv_ule", "is_bv_ule": "is_bv_ult",
         "is_bv_slt": "is_bv_sle", "is_bv_sle": "is_bv_slt"}
# The same for names that must be exchanged together in a statement
NAME_PAIRS = [{"BVAddSimpl": "BVSubSimpl", "make_bv_add_symbol": "make_bv_sub_symbol"},
              {"BVSubSimpl": "BVAddSimpl", "make_bv_sub_symbol": "make_bv_add_symbol"},
              {"BVNotSimpl": "BVNegSimpl", "make_bv_not_symbol": "make_bv_neg_symbol"},
              {"BVNegSimpl": "BVNotSimpl", "make_bv_neg_symbol": "make_bv_not_symbol"},
              {"BVRolSimpl": "BVRorSimpl", "make_bv_rotate_left_symbol": "make_bv_rotate_right_symbol"},
              {"BVRorSimpl": "BVRolSimpl", "make_bv_rotate_right_symbol": "make_bv_rotate_left_symbol"}]
# Functions by which calculators read a term, the last argument of the call, and its possible values
READERS = {"read_width", "read_number", "is_numeral", "find_numeral", "is_true", "is_truth_value"}
TERMS = {"t": set(), "value": set(), "t->get_arg(0)": {"a", "x", "c"}, "t->get_arg(1)": {"b", "th"}}
ASSIGNMENTS = {"=", "+=", "-=", "*=", "/=", "%=", "&=", "|=", "^=", "<<=", ">>="}
OPENING = {"(": ")", "[": "]", "{": "}", "[[": "]]"}
CLOSING = set(OPENING.values())


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    begin: int
    end: int


@dataclass(frozen=True)
class Mutant:
    """One change of one file; `line_text` with `repetition` and `change` name it independently of line numbers."""

    path: str
    line: int
    line_text: str
    repetition: int  # 1 for the first line of the file with this text
    change: str
    begin: int
    end: int
    replacement: str

    def key(self):
        return (self.path, self.line_text, str(self.repetition), self.change)

    def apply(self, source):
        return source[: self.begin] + self.replacement + source[self.end :]


def tokenize(source):
    tokens = []
    for match in TOKEN.finditer(source):
        if match.lastgroup not in ("skip", "directive"):
            tokens.append(Token(match.lastgroup, match.group(), match.start(), match.end()))
    return tokens


class SourceFile:
    """The tokens of one file, with the structure that the kinds of mutants need."""

    def __init__(self, path, source):
        self.path = path
        self.source = source
        self.tokens = tokenize(source)
        self.partner = self.match_brackets()
        self.frozen = self.find_frozen()
        self.changes = []  # (begin, end, replacement, description)

    def text(self, i):
        return self.tokens[i].text if 0 <= i < len(self.tokens) else ""

    def span(self, first, last):
        return self.source[self.tokens[first].begin : self.tokens[last].end]

    def is_binary(self, i):
        token = self.tokens[i]
        return self.source[token.begin - 1].isspace() and self.source[token.end : token.end + 1].isspace()

    def match_brackets(self):
        partner, open_ones = {}, []
        for i, token in enumerate(self.tokens):
            if token.kind != "mark":
                continue
            if token.text in OPENING:
                open_ones.append(i)
            elif token.text in CLOSING:
                begin = open_ones.pop()
                partner[begin], partner[i] = i, begin
        return partner

    def end_of_template(self, i):
        """The last token of the template arguments that begin with the token i, a `<`."""
        depth = 0
        while True:
            depth += {"<": 1, ">": -1, ">>": -2}.get(self.text(i), 0)
            if depth <= 0:
                return i
            i += 1

    def find_frozen(self):
        """The tokens that stay as they are: assertions, attributes, template arguments, declared operators."""
        frozen = set()
        for i, token in enumerate(self.tokens):
            if i in frozen:
                continue
            if token.text in ("assert", "static_assert") and self.text(i + 1) == "(":
                frozen.update(range(i, self.partner[i + 1] + 1))
            elif token.text == "[[":
                frozen.update(range(i, self.partner[i] + 1))
            elif token.text in ("using", "namespace"):
                end = i
                while self.text(end) not in (";", "{"):
                    end += 1
                frozen.update(range(i, end))
            elif token.text == "operator":
                frozen.update((i, i + 1))
            elif token.text == "<" and (self.text(i - 1) == "template" or not self.is_binary(i)):
                frozen.update(range(i, self.end_of_template(i) + 1))
            elif token.text == "0" and self.text(i - 1) == "=" and self.text(i - 2) in (")", "const"):
                frozen.add(i)  # a pure virtual function
        return frozen

    def add(self, first, last, replacement, description):
        self.changes.append((self.tokens[first].begin, self.tokens[last].end, replacement, description))

    # ------------------------------------------------------------------------------------- kinds of mutants

    def mutate_tokens(self):
        for i, token in enumerate(self.tokens):
            if i in self.frozen:
                continue
            if token.kind == "number":
                self.mutate_number(i)
            elif token.kind == "text":
                self.add(i, i, token.text[:-1] + '?"', "text changed")
            elif token.kind == "name" and token.text in WORDS:
                self.add(i, i, WORDS[token.text], f"`{token.text}` to `{WORDS[token.text]}`")
            elif token.kind == "name" and token.text in NAMES and self.text(i - 1) not in ("QNumber", "Term", "*"):
                self.add(i, i, NAMES[token.text], f"`{token.text}` to `{NAMES[token.text]}`")
            elif token.kind == "mark":
                self.mutate_operator(i)

    def mutate_number(self, i):
        number = self.text(i)
        digits = number.rstrip("uUlL")
        suffix = number[len(digits) :]
        value = int(digits, 0)
        for other in [0, 2] if value == 1 else [value + 1]:
            self.add(i, i, f"{other}{suffix}", f"`{number}` to `{other}{suffix}`")

    def mutate_operator(self, i):
        mark = self.text(i)
        if mark in BINARY and self.is_binary(i):
            for other in BINARY[mark]:
                self.add(i, i, other, f"`{mark}` to `{other}`")
        elif mark in ("++", "--"):
            other = "--" if mark == "++" else "++"
            self.add(i, i, other, f"`{mark}` to `{other}`")
        elif mark in ("-", "!", "~") and not self.source[self.tokens[i].end].isspace():
            is_destructor = mark == "~" and self.text(i + 2) == "("
            if not is_destructor:
                self.add(i, i, "", f"`{mark}` dropped")
        elif mark == "?":
            self.exchange_branches(i)

    def exchange_branches(self, question):
        colon = self.next_at_depth(question + 1, {":"})
        end = self.next_at_depth(colon + 1, {";", ",", ")", "}", ":"}) - 1
        first, second = self.span(question + 1, colon - 1), self.span(colon + 1, end)
        self.add(question + 1, end, f"{second} : {first}", "branches exchanged")

    def next_at_depth(self, i, wanted):
        """The next token that is wanted, outside of brackets and of nested choices."""
        nested = 0
        while nested > 0 or self.text(i) not in wanted:
            if self.text(i) in OPENING:
                i = self.partner[i]
            elif self.text(i) == "?":
                nested += 1
            elif self.text(i) == ":" and nested > 0:
                nested -= 1
            i += 1
        return i

    def negate_conditions(self):
        for i, token in enumerate(self.tokens):
            if token.text in ("if", "while") and self.text(i + 1) == "(":
                self.negate(i + 2, self.partner[i + 1] - 1)
            elif token.text == "bool" and self.text(i + 2) == "=" and i not in self.frozen:
                self.negate(i + 3, self.next_at_depth(i + 3, {";", ","}) - 1)

    def negate(self, first, last):
        """Unless another mutant does the same: a changed comparison, a dropped `!`, exchanged branches."""
        texts = [self.text(i) for i in range(first, last + 1) if i not in self.frozen]
        joined = any(t in ("&&", "||") for t in texts)
        comparisons = sum(self.text(i) in COMPARISONS and i not in self.frozen for i in range(first, last + 1))
        is_single = not joined and (comparisons == 1 or texts[0] == "!")
        if not is_single and "?" not in texts and texts != ["true"] and texts != ["false"]:
            self.add(first, last, f"!({self.span(first, last)})", "condition negated")

    def mutate_statements(self):
        statements = self.find_statements()
        for first, last, _ in statements:
            self.add(first, last, ";", "statement dropped")
        for (first, last, is_ordered), (next_first, next_last, next_is_ordered) in zip(statements, statements[1:]):
            follows = next_first == last + 1 and self.text(first - 1) in (";", "{", "}")
            if follows and is_ordered and next_is_ordered and not self.commute(first, last, next_first, next_last):
                exchanged = f"{self.span(next_first, next_last)} {self.span(first, last)}"
                self.add(first, next_last, exchanged, "exchanged with the next statement")

    def find_statements(self):
        """(first token, last token, whether it is an assignment or a call) of the statements without a block."""
        in_code = self.find_code()
        statements = []
        for i in range(1, len(self.tokens)):
            begins = self.text(i - 1) in (";", "{", "}", ")", "else", "do", "]]") and in_code[i]
            if not begins or i in self.frozen or (self.text(i - 1) == ")" and not self.closes_header(i - 1)):
                continue
            end = i
            while end < len(self.tokens) and self.text(end) not in (";", "{", "}"):
                end = self.partner[end] + 1 if self.text(end) in ("(", "[", "[[") else end + 1
            if self.text(end) != ";" or end == i:
                continue
            if self.text(i) in ("return", "break", "continue", "throw"):
                statements.append((i, end, False))
            elif self.is_effect(i, end):
                statements.append((i, end, True))
        return statements

    def closes_header(self, i):
        return self.text(self.partner[i] - 1) in ("if", "while", "for", "switch")

    def find_code(self):
        """For each token whether it stands in a function, and not directly in a class or a namespace."""
        in_code, scopes, heads = [], [False], []
        for i, token in enumerate(self.tokens):
            in_code.append(scopes[-1])
            if token.text == "{":
                is_scope = any(t in ("namespace", "class", "struct", "enum") for t in heads)
                scopes.append(not is_scope)
            elif token.text == "}":
                scopes.pop()
            if token.text in ("{", "}", ";"):
                heads = []
            elif i not in self.frozen or token.text == "namespace":
                heads.append(token.text)
        return in_code

    def is_effect(self, first, last):
        """Whether the statement is an assignment, an increment or a call, and declares nothing."""
        if self.text(first) in ("++", "--"):
            return True
        if self.text(first) in ("auto", "const", "if", "else", "while", "for", "switch", "do"):
            return False
        i = first + 1 if self.text(first) == "*" else first
        while i < last:
            if self.text(i) == "(" or self.text(i) in ASSIGNMENTS or self.text(i) in ("++", "--"):
                return True
            if self.text(i) == "[":
                i = self.partner[i]
            elif self.tokens[i].kind == "name":
                if self.tokens[i + 1].kind == "name" or self.text(i + 1) in ("&", "*", "<"):
                    return False
            elif self.text(i) not in (".", "->", "::", "]", ")", "*"):
                return self.text(i) == "<<"
            i += 1
        return False

    def commute(self, first, last, next_first, next_last):
        """Whether neither of two statements uses what the other one sets, as far as their text shows. That is known
        for assignments without calls, and for calls of GMP, which sets its first argument."""
        one, two = self.read_effect(first, last), self.read_effect(next_first, next_last)
        if not one or not two:
            return False
        (target, reads), (next_target, next_reads) = one, two
        return not contains(next_target + next_reads, target) and not contains(target + reads, next_target)

    def read_effect(self, first, last):
        """(what a statement sets, the rest of it) as texts of tokens, or null if that is not known."""
        texts = [self.text(i) for i in range(first, last)]
        if texts[0].startswith("mpz_") and self.partner.get(first + 1) == last - 1:
            end = self.next_at_depth(first + 2, {",", ")"}) - first
            return texts[2:end], texts[end:]
        has_call = any(self.tokens[i].kind == "name" and self.text(i + 1) == "(" for i in range(first, last))
        if has_call or "=" not in texts:
            return None
        return texts[: texts.index("=")], texts[texts.index("=") :]


    def mutate_calls(self):
        """Another term is read, or two arguments or elements of a list are exchanged."""
        in_code = self.find_code()
        for i, token in enumerate(self.tokens):
            if token.text not in ("(", "{") or not in_code[i] or i in self.frozen:
                continue
            is_call = self.tokens[i - 1].kind == "name" and self.text(i - 1) not in ("if", "while", "for", "switch")
            is_list = token.text == "{" and (self.tokens[i - 1].kind == "name" or self.text(i - 1) == "return")
            if not is_call and not is_list:
                continue
            arguments = self.split_arguments(i)
            if self.text(i - 1) in READERS and len(arguments) == 2:
                self.exchange_term(*arguments[1])
            for one, two in zip(arguments, arguments[1:]):
                self.exchange_arguments(one, two)

    def split_arguments(self, opening):
        """(first token, last token) of each argument of a call, none if there is a statement between."""
        arguments, begin, end = [], opening + 1, self.partner[opening]
        while begin < end:
            stop = begin
            while stop < end and self.text(stop) != ",":
                if self.text(stop) == ";":
                    return []
                stop = self.partner[stop] + 1 if self.text(stop) in OPENING else stop + 1
            arguments.append((begin, stop - 1))
            begin = stop + 1
        return arguments

    def exchange_term(self, first, last):
        found = self.span(first, last)
        for other, names in TERMS.items():
            if other != found and found not in names:
                self.add(first, last, other, f"`{found}` to `{other}`")

    def exchange_arguments(self, one, two):
        first, second = self.span(*one), self.span(*two)
        # Their types differ from all others.
        if first == second or {first, second} & {"mgr", "defs"} or " " in first + second:
            return
        self.add(one[0], two[1], f"{second}, {first}", f"`{first}` and `{second}` exchanged")

    def mutate_name_pairs(self):
        """Both names of a pair in a statement are exchanged for another pair."""
        begin = 0
        for i in range(len(self.tokens)):
            if self.text(i) != ";":
                continue
            for pair in NAME_PAIRS:
                places = [j for j in range(begin, i) if self.text(j) in pair]
                if len({self.text(j) for j in places}) == len(pair):
                    replaced = self.span(places[0], places[-1])
                    for name, other in pair.items():
                        replaced = replaced.replace(name, other)
                    old, new = " and ".join(pair), " and ".join(pair.values())
                    self.add(places[0], places[-1], replaced, f"`{old}` to `{new}`")
            begin = i + 1

    def mutate_refusals(self):
        """A refusal also, or only, applies to widths beyond a word."""
        for i, token in enumerate(self.tokens):
            if token.text != "if" or self.text(i + 1) != "(":
                continue
            closing = self.partner[i + 1]
            end = closing + 1
            while self.text(end) not in (";", "{"):
                end += 1
            refusal = [self.text(j) for j in range(closing + 1, end)]
            is_refusal = refusal[:1] == ["return"] and (refusal[-1] == "refusal" or refusal[-1].startswith('"'))
            width = self.find_width(i)
            if is_refusal and width:
                condition = self.span(i + 2, closing - 1)
                self.add(i + 2, closing - 1, f"({condition}) && {width} <= 64", "refusal narrowed to words")
                if refusal[-1] != "refusal":
                    self.add(i + 2, closing - 1, f"({condition}) || {width} > 64", "refusal widened beyond words")

    def find_width(self, i):
        """An expression for a width at the token i, None if no sort there has one."""
        begin = i
        while begin > 0 and self.source[self.tokens[begin].begin - 1 : self.tokens[begin].end] != "\n{":
            begin -= 1
        names = {self.text(j) for j in range(begin, i)}
        parameters = self.partner.get(begin - 1)
        names |= {self.text(j) for j in range(parameters or begin, begin)}
        if "th" in names:
            return "read_width(mgr, th)"
        if "w" in names:
            return "w"
        if "is_truth_value" in names or "is_truth_value" in {self.text(j) for j in range(i, self.partner[i + 1])}:
            return None
        return "read_width(mgr, t->get_arg(0))" if {"mgr", "t"} <= names else None


def contains(texts, part):
    return any(texts[i : i + len(part)] == part for i in range(len(texts)))


def make_mutants(path, source):
    """All mutants of a file, in the order of the places where they differ from it."""
    file = SourceFile(path, source)
    file.mutate_tokens()
    file.negate_conditions()
    file.mutate_statements()
    if path.startswith("lumo/calculators/"):
        file.mutate_calls()
        file.mutate_name_pairs()
        file.mutate_refusals()

    lines = source.split("\n")
    mutants, seen = [], {}
    for begin, end, replacement, description in sorted(set(file.changes)):
        line = source.count("\n", 0, begin)
        text = lines[line].strip()
        repetition = sum(other.strip() == text for other in lines[: line + 1])
        # The same change at several places of a line gets a number.
        seen[line, description] = seen.get((line, description), 0) + 1
        number = seen[line, description]
        change = description if number == 1 else f"{description} ({number})"
        mutants.append(Mutant(path, line + 1, text, repetition, change, begin, end, replacement))
    return mutants
