#ifndef LUMO_SOLVERS_Z3_SERVER_H
#define LUMO_SOLVERS_Z3_SERVER_H

namespace lumo::solvers {

/// Reads the commands of a conversation from one descriptor, lets Z3 do in this process what they say, and answers on
/// the other one as an SMT-LIB 2 solver does, until the commands end or say `exit`. It understands what is said to a
/// solver between queries: declarations, definitions, assertions with and without names, levels, queries with and
/// without assumptions, and questions for the model, the core and the reason of an unknown answer.
///
/// There is no time limit, and Z3 may take three quarters of the machine's memory for its terms alone: call this in a
/// process of its own.
void serve_z3(int in, int out);

/// The same for commands over any terms: Z3 reads the texts itself.
void serve_z3_text(int in, int out);

}  // namespace lumo::solvers

#endif
