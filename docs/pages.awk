# Prepares a page for doxygen: awk -f docs/pages.awk PAGE. Every heading gets the anchor that it has on the web, behind the
# name of its page, and links to pages become references, so that doxygen warns of a link that leads nowhere. HTML comments
# are left out: they are for tests.

# What doxygen knows a page by: docs/files.md is "page-files". Both directories have a README.
function page(path) {
    sub(/\.md$/, "", path)
    if (path ~ /(^|\/)docs\/README$/)
        return "page-all"
    sub(/.*\//, "", path)
    return "page-" path
}

# As the web makes it of a heading.
function anchor(heading) {
    heading = tolower(heading)
    gsub(/[^a-z0-9 _-]/, "", heading)
    gsub(/ /, "-", heading)
    return heading
}

function reference(target,    parts, id) {
    if (target ~ /^[a-z]+:/ || target !~ /(\.md$|#)/)
        return target
    split(target, parts, "#")
    id = parts[1] == "" ? name : page(parts[1])
    if (parts[2] != "")
        return "@ref " id "-" parts[2]
    return "@ref " (id == "page-README" ? "index" : id)
}

# A quotation mark ends code between single backticks.
function doubled(text,    done, code, end) {
    while (match(text, /`+/)) {
        done = done substr(text, 1, RSTART - 1)
        code = substr(text, RSTART, RLENGTH)
        text = substr(text, RSTART + RLENGTH)
        if (code == "`" && (end = index(text, "`"))) {
            code = "``" substr(text, 1, end - 1) "``"
            text = substr(text, end + 1)
        } else if (code == "``" && (end = index(text, "``"))) {
            code = code substr(text, 1, end + 1)
            text = substr(text, end + 2)
        }
        done = done code
    }
    return done text
}

FNR == 1 { name = page(FILENAME) }

/^ *```/ && !comment { fenced = !fenced }

fenced { print; next }

comment || /^ *<!--/ {
    comment = !/-->/
    print ""
    next
}

FNR == 1 {
    print $0 " {#" (name == "page-README" ? "mainpage" : name) "}"
    next
}

/^##+ / {
    title = $0
    sub(/^#+ /, "", title)
    print $0 " {#" name "-" anchor(title) "}"
    next
}

{
    while (/\[[^]]*$/ && (getline more) > 0) { # a reference stays in one line
        sub(/^ +/, "", more)
        $0 = $0 " " more
    }
    line = ""
    while (match($0, /\]\([^)]*\)/)) {
        line = line substr($0, 1, RSTART + 1) reference(substr($0, RSTART + 2, RLENGTH - 3)) ")"
        $0 = substr($0, RSTART + RLENGTH)
    }
    print doubled(line $0)
}
