#include "cli/help.h"

namespace tolvane {

const char* const versionText = "tolvane " TOLVANE_VERSION "\n";

const char* const helpText = R"(usage: tolvane COMMAND [OPTION]... [FILE]...

  inspect FILE...          what each file is, or why it is refused
  offers FILE...           every conversion and tool for the files, and what each still needs
  convert FILE... --to TARGET
                           one conversion for all files: pdf, docx, png, mp3, zip, ...
  tool TOOL FILE...        one tool: compress, crop, merge, split, join, metadata, ...
  action ACTION FILE...    run one action:
                             pdf_png pdf_jpeg rotate_pdf merge_pdf split_pdf edit_pdf
                             extract_text ocr image_png image_jpeg images_pdf resize
  engines                  which outside engines were found, and how they are confined
  open [FILE]...           hand files to the desktop host; start it if it is not running
  host                     speak JSON-RPC on standard input and output

  --out DIR                where results go; otherwise beside the first file
  --set KEY=VALUE          an option of the conversion or tool (see offers) or of the action;
                           may be repeated. The actions know:
                             quality=0.1...1   JPEG quality
                             maxDimension=16...16384   longer side after "resize", in pixels
                             range=1-3,5   pages of "split_pdf"
                             pages=[2,0]   pages of "edit_pdf", counted from 0, in their new order
                             rotations={"2":90}   degrees that "edit_pdf" turns a page by
  --json                   print machine-readable results
  --quiet                  no progress
  --help, --version

Paths of results go to standard output, one a line; everything else goes to standard error.
Exit status: 0 done, 1 failed, 2 wrong usage, 130 cancelled. Ctrl-C cancels and cleans up.
)";

}  // namespace tolvane
