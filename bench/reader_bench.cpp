// Time and memory that lumo, Z3's parser and cvc5 need to read a script, each in a separate process.
//
//   reader_bench [N [MOST [SHAPE...]]]    tables for N applications, and lumo alone for MOST
//
// The processes are `read_with_lumo FILE` and `read_with_z3 FILE`, in the folder of this program, and `cvc5`.
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

/// Runs a program; returns nothing if it fails or takes too long.
std::optional<Cost> run(const std::vector<std::string>& words)
{
  constexpr rlim_t kMostSeconds = 60;
  const pid_t child = fork();
  if (child < 0) stop("no process could be started");
  if (child == 0) {
    const rlimit seconds{kMostSeconds, kMostSeconds + 1};
    setrlimit(RLIMIT_CPU, &seconds);
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
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
    std::optional<Cost> large;
    if (most > n) {
      write(shape, most);
      large = run_often({folder_ / "read_with_lumo", file_});
    }
    print_row(shape.name, text, *lumo, z3, cvc5, large);
    std::filesystem::remove(file_);
  }

 private:
  void write(const TextShape& shape, std::size_t n) const
  {
    std::ofstream(file_, std::ios::binary) << shape.make(n);
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
                        const std::optional<Cost>& cvc5, const std::optional<Cost>& large)
  {
    std::printf("%-6s %7.1f", name, text);
    for (double Cost::*value : {&Cost::seconds, &Cost::megabytes}) {
      const double least = std::min(get(z3, value), get(cvc5, value));
      print_figure(lumo.*value);
      print_figure(get(z3, value));
      print_figure(get(cvc5, value));
      print_figure(lumo.*value / least);
    }
    if (large) std::printf(" %8.2f %8.1f", large->seconds / lumo.seconds, large->megabytes);
    std::printf("\n");
    std::fflush(stdout);
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
  std::printf("%-6s %7s %35s %35s\n", "", "text", "seconds", "megabytes");
  std::printf("%-6s %7s", "shape", "MB");
  for (int i = 0; i < 2; ++i)
    std::printf(" %8s %8s %8s %8s", "lumo", "z3", "cvc5", "ratio");
  std::printf(" %8s %8s\n", "growth", "MB");
  const std::filesystem::path folder = std::filesystem::path(argv[0]).parent_path();
  Bench bench(folder);
  for (const TextShape& shape : kTextShapes) {
    const bool is_chosen = std::find(chosen.begin(), chosen.end(), shape.name) != chosen.end();
    if (chosen.empty() || is_chosen) bench.run_shape(shape, n, most);
  }
  return 0;
}
