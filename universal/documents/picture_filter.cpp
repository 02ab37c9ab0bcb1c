#include "universal/documents/picture_filter.h"

namespace tolvane::UniversalEngine {

namespace {

/// `keepsRelative` and `ownPrefix` are defined in front of it. The file names in metadata, in
/// attributes of headings and in raw HTML are those that the docx, odt, epub and pptx writers open.
constexpr std::string_view rules = R"lua(
local function isOutside(path)
  return path:find("^[/\\]") or path:find("^%a[%w+.-]*:") or path:find("..", 1, true)
end

local function belongs(source)
  if source:find("^data:") or (ownPrefix ~= "" and source:sub(1, #ownPrefix) == ownPrefix) then
    return true
  end
  local path = source:gsub("%%(%x%x)", function(code) return string.char(tonumber(code, 16)) end)
  return keepsRelative and not isOutside(path)
end

local function withoutFiles(raw)
  local text = raw.text:lower()
  for _, tag in ipairs({"<img", "<video", "<audio", "<source"}) do
    if text:find(tag, 1, true) then
      return {}
    end
  end
end

return {{
  Image = function(picture)
    if not belongs(picture.src) then
      return picture.caption
    end
  end,
  RawInline = withoutFiles,
  RawBlock = withoutFiles,
  Header = function(heading)
    heading.attributes["background-image"] = nil
    heading.attributes["data-background-image"] = nil
    return heading
  end,
  Meta = function(meta)
    for _, name in ipairs({"cover-image", "css", "stylesheet", "background-image"}) do
      meta[name] = nil
    end
    return meta
  end
}}
)lua";

}  // namespace

std::string pictureFilter(RelativePictures relative, std::string_view ownPrefix) {
  std::string script = "local keepsRelative = ";
  script += relative == RelativePictures::kept ? "true" : "false";
  script += "\nlocal ownPrefix = \"";
  script += ownPrefix;
  script += '"';
  script += rules;
  return script;
}

}  // namespace tolvane::UniversalEngine
