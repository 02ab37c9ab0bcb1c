#include "formats/workbook.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "engine/primitives/conversion_failure.h"
#include "formats/worksheet_text.h"
#include "platform/files/bytes.h"
#include "platform/files/file_system.h"

namespace tolvane::UniversalFormats {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t maxRows = 100'000;
constexpr std::size_t maxCells = 16'384;       // of a row; no spreadsheet program shows more
constexpr std::size_t blockBytes = 1'048'576;  // of the sheet that are held in memory
constexpr double zipTimeout = 120;             // seconds

/// Says nothing new, but sets aside what the user's own ZIPOPT or ZIP say.
constexpr const char* zipOptions = "-q";

constexpr std::string_view folders[] = {"_rels", "xl", "xl/_rels", "xl/worksheets"};
constexpr std::string_view worksheetPart = "xl/worksheets/sheet1.xml";

struct Part {
  std::string_view path;
  std::string_view content;
};

/// The parts that are the same in every workbook. Their names and types are those of ECMA-376: the
/// package in Part 2, the spreadsheet in Part 1.
constexpr Part fixedParts[] = {
    {"[Content_Types].xml",
     R"(<?xml version="1.0"?>)"
     R"(<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">)"
     R"(<Default Extension="rels" )"
     R"(ContentType="application/vnd.openxmlformats-package.relationships+xml"/>)"
     R"(<Default Extension="xml" ContentType="application/xml"/>)"
     R"(<Override PartName="/xl/workbook.xml" ContentType=")"
     R"(application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml"/>)"
     R"(<Override PartName="/xl/worksheets/sheet1.xml" ContentType=")"
     R"(application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml"/>)"
     R"(</Types>)"},
    {"_rels/.rels",
     R"(<?xml version="1.0"?>)"
     R"(<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">)"
     R"(<Relationship Id="rId1" Type=")"
     R"(http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument" )"
     R"(Target="xl/workbook.xml"/>)"
     R"(</Relationships>)"},
    {"xl/workbook.xml",
     R"(<?xml version="1.0"?>)"
     R"(<workbook xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" )"
     R"(xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships">)"
     R"(<sheets><sheet name="Extracted table" sheetId="1" r:id="rId1"/></sheets>)"
     R"(</workbook>)"},
    {"xl/_rels/workbook.xml.rels",
     R"(<?xml version="1.0"?>)"
     R"(<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">)"
     R"(<Relationship Id="rId1" Type=")"
     R"(http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet" )"
     R"(Target="worksheets/sheet1.xml"/>)"
     R"(</Relationships>)"},
};

/// The folder in which the parts are laid out. It goes with this object.
class PackageFolder {
 public:
  explicit PackageFolder(const fs::path& workspace)
      : path_(workspace / ("xlsx-" + FileSystem::newUuid())) {
    FileSystem::createDirectory(path_, FileSystem::ownerOnly);
  }
  ~PackageFolder() { FileSystem::removeQuietly(path_); }
  PackageFolder(const PackageFolder&) = delete;
  PackageFolder& operator=(const PackageFolder&) = delete;

  [[nodiscard]] const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

void requireSupported(const Table& rows) {
  const bool isSupported = !rows.empty() && rows.size() <= maxRows &&
                           std::all_of(rows.begin(), rows.end(), [](const TableRow& row) {
                             return row.size() <= maxCells;
                           });
  if (!isSupported) {
    throw ConversionFailure::message("No supported table was found.");
  }
}

void writeFixedParts(const fs::path& package) {
  for (const std::string_view folder : folders) {
    FileSystem::createDirectory(package / folder, FileSystem::ownerOnly);
  }
  for (const Part& part : fixedParts) {
    FileSystem::writeAtomically(package / part.path, asBytes(part.content));
  }
}

void writeWorksheet(const Table& rows, const fs::path& file, const CancellationToken& token) {
  std::string block(WorksheetText::opening);
  for (std::size_t index = 0; index < rows.size(); ++index) {
    token.check();
    WorksheetText::appendRow(block, index + 1, rows[index]);
    if (block.size() >= blockBytes) {
      FileSystem::append(file, asBytes(block));
      block.clear();
    }
  }
  block += WorksheetText::closing;
  FileSystem::append(file, asBytes(block));
}

}  // namespace

void workbook(const Table& rows,
              const fs::path& to,
              const fs::path& workspace,
              const LocalToolchain& toolchain,
              const CancellationToken& token) {
  requireSupported(rows);
  const PackageFolder package(workspace);
  writeFixedParts(package.path());
  writeWorksheet(rows, package.path() / worksheetPart, token);
  // 7zz makes such packages, too.
  const bool hasZip = toolchain.find("zip") || !toolchain.find("7zz");
  const std::string name = to.string();
  toolchain.run({.name = hasZip ? "zip" : "7zz",
                 .arguments = hasZip ? std::vector<std::string>{"-qr", name, "."}
                                     : std::vector<std::string>{"a", "-tzip", name, "."},
                 .in = workspace,
                 .timeout = zipTimeout,
                 .environment = {{"ZIPOPT", zipOptions}},
                 .currentDirectory = package.path()},
                token);
}

}  // namespace tolvane::UniversalFormats
