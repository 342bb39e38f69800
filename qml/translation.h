#pragma once

/// Shows the texts of this module in the language of QLocale(), or in English if there is no translation. It does this
/// once for each application object, and needs one.
void installTranslation();
