// Time and memory that lumo, Z3's parser and cvc5 need to read a script, each in a separate process.
//
//   reader_bench [N [MOST [SHAPE...]]]    tables for N applications, and lumo alone for MOST
//
// The processes are `read_with_lumo FILE` and `read_with_z3 FILE`, in the folder of this program, and `cvc5`.
// The columns on MOST are, for lumo: the time to read it in units of that for N, the memory, and of `lumo simplify`
// (`simplify_with_lumo FILE`) the bytes for each application beyond the text, and the time of all in units of that of
// the elimination.
// Times are user and system time of the whole process, the best of three; memory is the peak of the resident size.
// A peer that takes more than a minute or dies counts as slower and larger than lumo.

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "bench/text_shapes.h"

namespace lumo::bench {
namespace {

[[noreturn]] void stop(const std::string& why)
{
  std::fprintf(stderr, "reader_bench: %s\n", why.c_str());
  std::exit(1);
}

struct Cost
{
  double seconds = 0;
  double megabytes = 0;
};

/// Runs a program, whose output goes to a file; returns nothing if it fails or takes too long.
std::optional<Cost> run(const std::vector<std::string>& words, const std::string& output = "/dev/null")
{
  constexpr rlim_t kMostSeconds = 60;
  const pid_t child = fork();
  if (child < 0) stop("no process could be started");
  if (child == 0) {
    const rlimit seconds{kMostSeconds, kMostSeconds + 1};
    setrlimit(RLIMIT_CPU, &seconds);
    dup2(open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
    dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
    std::vector<char*> argv;
    for (const std::string& word : words)
      argv.push_back(const_cast<char*>(word.c_str()));  // NOLINT: what execvp asks for
    argv.push_back(nullptr);
    execvp(argv[0], argv.data());
    std::_Exit(127);
  }
  int status = 0;
  rusage usage{};
  if (wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0) return {};
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return Cost{seconds(usage.ru_utime) + seconds(usage.ru_stime), static_cast<double>(usage.ru_maxrss) / 1024};
}

std::optional<Cost> run_often(const std::vector<std::string>& words)
{
  std::optional<Cost> best = run(words);
  for (int i = 0; i < 2 && best && best->seconds < 10; ++i) {
    const std::optional<Cost> next = run(words);
    if (!next) return {};
    best->seconds = std::min(best->seconds, next->seconds);
    best->megabytes = std::min(best->megabytes, next->megabytes);
  }
  return best;
}

class Bench
{
 public:
  explicit Bench(std::filesystem::path folder) : folder_(std::move(folder)) {}

  void run_shape(const TextShape& shape, std::size_t n, std::size_t most)
  {
    write(shape, n);
    const std::optional<Cost> lumo = run_often({folder_ / "read_with_lumo", file_});
    const std::optional<Cost> z3 = run_often({folder_ / "read_with_z3", file_});
    const std::optional<Cost> cvc5 = run_often({"cvc5", "--parse-only", file_});
    if (!lumo) stop(std::string("lumo does not read ") + shape.name);
    const double text = static_cast<double>(std::filesystem::file_size(file_)) / 1024 / 1024;
    print_row(shape.name, text, *lumo, z3, cvc5);
    if (most > n) {
      write(shape, most);
      print_growth(*lumo, most);
    }
    std::printf("\n");
    std::fflush(stdout);
    std::filesystem::remove(file_);
  }

 private:
  /// The columns on a text of `most` applications, after lumo's cost for a smaller one.
  void print_growth(const Cost& small, std::size_t most) const
  {
    const std::optional<Cost> large = run_often({folder_ / "read_with_lumo", file_});
    const std::string share_file = file_ + ".share";
    const std::optional<Cost> simplify = run({folder_ / "simplify_with_lumo", file_}, share_file);
    if (!large || !simplify) stop("lumo does not read or simplify the larger text");
    double share = 0;
    std::ifstream(share_file) >> share;
    std::filesystem::remove(share_file);
    const double beyond =
        simplify->megabytes * 1024 * 1024 - static_cast<double>(std::filesystem::file_size(file_));
    std::printf(" %8.2f %8.1f %8.0f %8.2f", large->seconds / small.seconds, large->megabytes,
                beyond / static_cast<double>(most), 1 / share);
  }

  /// Writes the text in a process of its own: the most memory that a process had counts for those that it starts.
  void write(const TextShape& shape, std::size_t n) const
  {
    const pid_t child = fork();
    if (child < 0) stop("no process could be started");
    if (child == 0) {
      std::ofstream file(file_, std::ios::binary);
      file << shape.make(n) << std::flush;
      std::_Exit(file ? 0 : 1);
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child || status != 0) stop("the text could not be written");
  }

  static double get(const std::optional<Cost>& cost, double Cost::*value)
  {
    return cost ? (*cost).*value : 1e9;
  }

  static void print_figure(double figure)
  {
    if (figure >= 1e9) {
      std::printf(" %8s", "-");
    } else {
      std::printf(" %8.3f", figure);
    }
  }

  static void print_row(const char* name, double text, const Cost& lumo, const std::optional<Cost>& z3,
                        const std::optional<Cost>& cvc5)
  {
    std::printf("%-6s %7.1f", name, text);
    for (double Cost::*value : {&Cost::seconds, &Cost::megabytes}) {
      const double least = std::min(get(z3, value), get(cvc5, value));
      print_figure(lumo.*value);
      print_figure(get(z3, value));
      print_figure(get(cvc5, value));
      print_figure(lumo.*value / least);
    }
  }

  std::filesystem::path folder_;  ///< of the programs
  std::string file_ =
      (std::filesystem::temp_directory_path() / ("reader_bench-" + std::to_string(getpid()) + ".smt2"))
          .string();
};

}  // namespace
}  // namespace lumo::bench

int main(int argc, char** argv)
{
  using namespace lumo::bench;  // NOLINT(google-build-using-namespace)
  const std::size_t n = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 100'000;
  const std::size_t most = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 1'000'000;
  const std::vector<std::string> chosen(argv + std::min(argc, 3), argv + argc);
  std::printf("%-6s %7s %35s %35s %17s %17s\n", "", "text", "seconds", "megabytes", "larger", "simplify");
  std::printf("%-6s %7s", "shape", "MB");
  for (int i = 0; i < 2; ++i)
    std::printf(" %8s %8s %8s %8s", "lumo", "z3", "cvc5", "ratio");
  std::printf(" %8s %8s %8s %8s\n", "growth", "MB", "bytes", "ratio");
  const std::filesystem::path folder = std::filesystem::path(argv[0]).parent_path();
  Bench bench(folder);
  for (const TextShape& shape : kTextShapes) {
    const bool is_chosen = std::find(chosen.begin(), chosen.end(), shape.name) != chosen.end();
    if (chosen.empty() || is_chosen) bench.run_shape(shape, n, most);
  }
  return 0;
}
