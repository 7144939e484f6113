// The command-line program. This file says what can be asked; the commands stand beside it.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <string>

#include "apps/zuml/commands.h"
#include "apps/zuml/files.h"
#include "zuml/core/xqdiagnostics.h"

namespace {

using namespace zuml_app;

constexpr int kFailedJob = 1;
constexpr int kWrongCall = 2;
constexpr int kMostPixels = 2147483647;

// "otsu", "valley", "min-variance", or a grey level.
Threshold ParseThreshold(const std::string& text) {
  using Kind = Threshold::Kind;
  if (text == "otsu") return {Kind::kOtsu, 0};
  if (text == "valley") return {Kind::kValley, 0};
  if (text == "min-variance") return {Kind::kMinVariance, 0};
  std::size_t used = 0;
  int value = -1;
  try {
    value = std::stoi(text, &used);
  } catch (const std::exception&) {
  }
  if (used != text.size() || value < 0 || value > 255) {
    throw CLI::ValidationError("--threshold", "'" + text +
                                                  "' is not otsu, valley, min-variance or a "
                                                  "grey level from 0 to 255");
  }
  return {Kind::kFixed, value};
}

void AddMeasure(CLI::App& app, MeasureOptions& options, std::string& threshold) {
  CLI::App* command =
      app.add_subcommand("measure", "Find the parts of a picture and print a table of the largest");
  command->add_option("IMAGE", options.image, "The picture: .png, .jpg, .bmp, .tif or .zmg")
      ->required();
  command->add_option(
      "--threshold", threshold,
      "Where parts begin: otsu (the default), valley, min-variance, or a grey level "
      "from 0 to 255");
  command->add_flag("--dark", options.dark, "The parts are darker than what is around them");
  command
      ->add_option("--connectivity", options.connectivity,
                   "Neighbours of a pixel: 8 (the default) joins across corners, 4 does not")
      ->check(CLI::IsMember({4, 8}));
  command
      ->add_option("--open", options.open,
                   "Clean first by an opening: what a square of 2 N + 1 pixels a side does not fit "
                   "into goes, such as specks and bridges")
      ->type_name("N")
      ->check(CLI::Range(0, 1000));
  command
      ->add_option("--close", options.close,
                   "Clean then by a closing: gaps that such a square does not fit into are filled")
      ->type_name("N")
      ->check(CLI::Range(0, 1000));
  command->add_option("--min-area", options.min_area, "Leave out parts of fewer pixels")
      ->type_name("PIXELS")
      ->check(CLI::Range(0, kMostPixels));
  command->add_option("--max-area", options.max_area, "Leave out parts of more pixels")
      ->type_name("PIXELS")
      ->check(CLI::Range(0, kMostPixels));
  command->add_flag("--fill", options.fill, "Fill holes");
  command
      ->add_option("--channel", options.channel,
                   "What is looked at in a colour picture: gray (the default) or channel 0 "
                   "(red), 1 (green), 2 (blue)")
      ->check(CLI::IsMember({"gray", "0", "1", "2"}));
  command->add_option("--rows", options.rows, "Parts in the printed table (20)")
      ->type_name("N")
      ->check(CLI::Range(0, kMostPixels));
  command->add_option("--labels", options.labels,
                      "Write the label image, with its region: OUT.zmg");
  command->add_option("--overlay", options.overlay,
                      "Write the picture with the parts in colours and outlined: OUT.png");
  command->add_option("--table", options.table, "Write the measures of all parts: OUT.csv");
}

int RunProgram(int argc, char** argv) {
  // The library's own lines are no results.
  XQSetDiagnosticOutput([](const char* text) { std::fputs(text, stderr); });
  XQSetMessageBoxOutput([](const char*) {});  // what they say is in the exception as well

  CLI::App app("Measures the parts of pictures, and tells about and converts image files.", "zuml");
  app.require_subcommand(1);
  app.set_version_flag("--version", ZUML_VERSION);
  app.footer(
      "For example:\n"
      "  zuml measure parts.png --min-area 50 --overlay found.png --table found.csv\n"
      "  zuml measure tiles.jpg --dark --open 2 --threshold valley --channel 1\n"
      "Exit status: 0 done, 1 the job failed, 2 the call was wrong.");
  MeasureOptions measure;
  std::string threshold = "otsu", file, in, out;
  AddMeasure(app, measure, threshold);
  CLI::App* info = app.add_subcommand("info", "Print what a file holds");
  info->add_option("FILE", file, "The file")->required();
  CLI::App* convert =
      app.add_subcommand("convert", "Write a picture in the format of another extension");
  convert->add_option("IN", in, "The file to read")->required();
  convert->add_option("OUT", out, "The file to write: .zmg, .tif, .png, .bmp or .jpg")->required();

  try {
    const auto named = [&](const CLI::App* command) { return command->check_name(argv[1]); };
    if (argc > 1 && argv[1][0] != '-' && app.get_subcommands(named).empty()) {
      throw CLI::ValidationError(argv[1], "is no command: measure, info or convert");
    }
    app.parse(argc, argv);
    measure.threshold = ParseThreshold(threshold);
    if (measure.min_area > measure.max_area) {
      throw CLI::ValidationError("--min-area", "is above --max-area: no part could be both");
    }
  } catch (const CLI::ParseError& e) {
    const int status = app.exit(e);  // prints the help that was asked for, or the error
    return status == 0 ? 0 : kWrongCall;
  }

  if (*info) {
    Info(file);
  } else if (*convert) {
    Convert(in, out);
  } else {
    Measure(measure);
  }
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
    throw JobError("cannot write the result to standard output");
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return RunProgram(argc, argv);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "zuml: %s\n", e.what());
  } catch (...) {
    std::fputs("zuml: an unknown error\n", stderr);
  }
  return kFailedJob;
}
