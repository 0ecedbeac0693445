#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// What the command line needs of the system that it runs on. Texts are UTF-8 on each.
namespace orvex::cli::platform {

/// Prepares the standard streams, which carry bytes as they are, and returns the words behind the program's name.
std::vector<std::string> start(int argc, char** argv);

/// Whether the standard output is a terminal.
bool printsToTerminal();

/// A name as the system has it, and back.
std::filesystem::path pathOf(std::string_view text);
std::string textOf(const std::filesystem::path& path);

/// Opens a file for reading bytes: its number, or -1 with the reason in errno.
int openToRead(const std::string& path);

/// The folder of the program itself; none where it cannot be told.
std::filesystem::path programFolder();

/// Shows a file in the browser. False where that cannot be done.
bool showInBrowser(const std::filesystem::path& page);

/// From now on `handler` is called when the user or the system wants the program to end, which also ends a wait for
/// input; and what nobody reads is an error of the write.
void onInterrupt(void (*handler)(int));

/// Whether the write that has just failed did so since nobody reads any more.
bool nobodyReads();

}  // namespace orvex::cli::platform
