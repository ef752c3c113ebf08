#include "view/TextStores.h"

#include "view/TextMask.h"
#include "view/Typeface.h"

namespace ormund {

namespace {
int references = 0;
}

TextStores::TextStores() { ++references; }

TextStores::~TextStores()
{
    if (--references > 0)
        return;
    forgetTextMasks();
    Typeface::medium().forgetTexts();
    Typeface::semiBold().forgetTexts();
}

} // namespace ormund
