// SPDX-License-Identifier: Apache-2.0
#include "kxassets/Command.h"

std::span<const Command> allCommands()
{
    static constexpr Command commands[] = {
        {"import", "Keep models or their materials, and pictures as environments or plates", declareImport},
        {"list", "List assets", declareList},
        {"show", "Show everything about one asset", declareShow},
        {"load", "Write assets into a scene file", declareLoad},
        {"save", "Save a part of a scene file as an asset", declareSave},
        {"group", "Save several parts of a scene file as one asset", declareGroup},
        {"tree", "Show the nodes of a scene file", declareTree},
        {"check", "Tell which assets in a scene file differ from the stored ones", declareCheck},
        {"rename", "Give an asset another name", declareRename},
        {"tag", "Show, add and remove tags", declareTag},
        {"compose", "Make a switch or multi-pass material from other materials", declareCompose},
        {"move", "Move assets or folders into another folder of the library", declareMove},
        {"merge", "Merge one folder of the library into another", declareMerge},
        {"remove", "Remove assets from the disk", declareRemove},
        {"preview", "Render previews again", declarePreview},
        {"render", "Render a picture of a scene file", declareRender},
        {"sheet", "Draw a contact sheet", declareSheet},
        {"verify", "Look for damage in a library", declareVerify},
        {"script", "Run a Python script", declareScript},
        {"compact", "Compress a scene file", declareCompact},
    };
    return commands;
}
