#pragma once

#include <string>

#include "orvex/catalogue/description.h"

/// What the outside world reads about the automation server, made from the catalogue and committed because people read
/// it too.
namespace orvex::inline ORVEX_COUNTS::automation {

inline constexpr std::string_view LibraryName = "Orvex";
inline constexpr std::string_view LibraryHelp = "Orvex Technical Analysis Library";
inline constexpr catalogue::Guid LibraryId{"8854b8a0-e5e8-4b9b-86de-2c096a9b7622"};
inline constexpr int LibraryMajorVersion = 1;
inline constexpr int LibraryMinorVersion = 0;
inline constexpr int LibraryLocale = 1033;
/// The platform's own marshaller of interfaces that a type library describes.
inline constexpr std::string_view InterfaceMarshaller = "{00020424-0000-0000-C000-000000000046}";

/// "Orvex.Field", by which hosts create objects of a class, and "Orvex.Field.1", which names the version too.
std::string programId(const catalogue::Class& described);
std::string versionedProgramId(const catalogue::Class& described);

/// orvex.idl: a dual interface and a coclass for each class, and the library of them.
std::string interfaceDefinition();

/// Orvex.Server.manifest: with it beside the DLL a program uses the classes without registering them, from any
/// apartment.
std::string registrationFreeManifest();

/// What compiled programs rely on: for each class its identifiers and the entries of its virtual table with
/// identifiers, names, arguments and results of its methods, one a line. A line that has been released never changes
/// again.
std::string interfaceContract();

}  // namespace orvex::inline ORVEX_COUNTS::automation
