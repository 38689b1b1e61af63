#pragma once

#include "Document.h"

namespace planner {
/// Writes the document beside the file and then puts it in the file's place: at every moment there is the
/// old file or the new one, whole. Throws WindowsError; the old file is untouched then.
void saveDocument(const Document& document, const std::wstring& file);

/// Throws WindowsError when the file cannot be read, and Exception when it is no planner document, was made
/// by a later version or is damaged.
DocumentPtr loadDocument(const std::wstring& file);
} // namespace planner
