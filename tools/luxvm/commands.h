#pragma once

namespace luxcli {
int cmd_accuracy(int argc, char** argv);
int cmd_digest(int argc, char** argv);         // hash of every export's outputs
int cmd_peers(int argc, char** argv);          // exports against the peers' reference data
int cmd_bench(int argc, char** argv);          // native build only; elsewhere it says so
int cmd_core_accuracy(int argc, char** argv);  // sweeps of the extended core

// The heading of the extended core's section of docs/accuracy.md, which
// `luxvm accuracy` keeps as it stands.
inline constexpr const char* kCoreSectionHeading = "## Internal extended-precision routines";
}  // namespace luxcli
