// Reads a script with Z3's parser, for reader_bench: read_with_z3 FILE

#include <cstdlib>

#include <z3.h>

int main(int argc, char** argv)
{
  if (argc != 2) return 2;
  Z3_context z3 = Z3_mk_context_rc(Z3_mk_config());
  Z3_ast_vector assertions = Z3_parse_smtlib2_file(z3, argv[1], 0, nullptr, nullptr, 0, nullptr, nullptr);
  const bool is_read = Z3_get_error_code(z3) == Z3_OK && Z3_ast_vector_size(z3, assertions) > 0;
  std::_Exit(is_read ? 0 : 1);
}
