#include "editor/EditScope.h"

#include "data/parameters/ChoiceArrows.h"
#include "data/tracks/EditButtons.h"

namespace ormund {

EditScope scopeOf(const ControlRow& row)
{
    const EditButton* edit = row.scope == EditScope::Parameter ? editButton(row.tag) : nullptr;
    if (!edit)
        return row.scope;
    return edit->operation == EditOperation::Copy ? EditScope::None : EditScope::Tracks;
}

int editedTag(const ControlRow& row)
{
    const ChoiceArrow* arrow = choiceArrow(row.tag);
    return arrow ? arrow->target : row.tag;
}

} // namespace ormund
