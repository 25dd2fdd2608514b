#pragma once
// How help windows come to take the pages of the help book for HTML. Knows nothing of the book. User-interface thread.

namespace tarvin {

// Once, before the first help window. Without it a page is shown as its source on every system whose register of file
// types calls the extension "htm" something else than plain HTML, and many do.
void ReadHelpPagesAsHtml();

}
