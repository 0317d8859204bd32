// Finds items of a page, visible ones only.
.pragma library

function all(predicate, from) {
    let found = [];
    for (let i = 0; i < from.children.length; ++i) {
        const child = from.children[i];
        if (!child.visible)
            continue;
        if (predicate(child))
            found.push(child);
        found = found.concat(all(predicate, child));
    }
    return found;
}

function named(from, name) {
    return all(item => item.objectName === name, from)[0] ?? null;
}

// The text of every label that is seen, in the order of the items.
function texts(from) {
    return all(item => item.font !== undefined && item.truncated !== undefined && item.text.length > 0, from)
        .map(item => item.text);
}
