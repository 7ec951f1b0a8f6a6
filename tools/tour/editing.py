"""What the editor offers beside typing."""

from profiles import click_button
from queries import editor, new_page, type_text

TEXT = "SELECT id, name FROM customers\nWHERE (name LIKE 'A%')\nORDER BY name;"


def bar_edit(t, name):
    edit = t.screen.find(t.main(), "text", name)
    t.screen.wait(lambda: edit.focused, f'the field "{name}" has no focus')
    return edit


def find_and_replace(t):
    where = new_page(t)
    type_text(t, where, TEXT)
    t.screen.keys("ctrl+Home", "ctrl+f")
    bar_edit(t, "Find")
    t.screen.type("name")
    t.screen.find(t.main(), "label", "1 of 3")
    t.screen.keys("F3")
    t.screen.find(t.main(), "label", "2 of 3")
    t.equal(where.selected_text, "name", "what was found")
    t.screen.keys("shift+F3")
    t.screen.find(t.main(), "label", "1 of 3")
    t.shot("find", where)

    t.screen.keys("Escape")
    t.screen.wait(lambda: where.focused, "the editor does not get the focus back")
    t.screen.keys("ctrl+h")
    replace = t.screen.find(t.main(), "text", "Replace with")
    t.screen.click(replace)
    t.screen.type("full_name")
    click_button(t, t.main(), "Replace all")
    t.screen.find(t.main(), "label", "Replaced: 3")
    t.equal(where.text, TEXT.replace("name", "full_name"), "the text after the replacement")
    t.shot("replace", where)
    t.screen.keys("Escape")
    t.screen.click(where)
    t.screen.keys("ctrl+z")
    t.screen.wait(lambda: where.text == TEXT, "undo does not bring the text back")
    t.screen.keys("ctrl+y")
    t.screen.wait(lambda: "full_name" in where.text, "redo does nothing")
    t.screen.keys("ctrl+z")
    t.screen.wait(lambda: where.text == TEXT, "undo after redo does nothing")


def commands(t):
    where = editor(t)
    t.screen.click(where)
    t.screen.keys("ctrl+Home", "ctrl+slash")
    t.screen.wait(lambda: where.text.startswith("--"), "the line is no comment")
    t.screen.keys("ctrl+slash")
    t.screen.wait(lambda: where.text == TEXT, "the comment stays")
    small = t.screen.picture().colours(where.rect)
    t.check(small > 1, "the editor is not painted")
    t.screen.keys("ctrl+plus", "ctrl+plus", "ctrl+plus", "ctrl+plus")
    t.screen.keys("ctrl+Home", "Down", "End", "Left")
    t.shot("zoom-and-braces", where)
    t.screen.keys("ctrl+0")
    t.screen.click(where, button=3)
    menu = t.screen.popup()
    names = [node.name.split("\t")[0] for node in menu.children]  # behind it the shortcut
    for name in ("Undo", "Cut", "Copy", "Paste", "Find...", "Replace...", "Toggle Comment"):
        t.check(name in names, f'"{name}" is not in the menu of the editor')
    t.shot("editor-menu", menu, rest=False)
    t.close_menu()
