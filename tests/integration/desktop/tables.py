"""A window with what has rows and values in GTK: a table of 1,000 rows, an outline, a list and a slider on two tabs.

Usage: /usr/bin/python3 tables.py
"""
import gi

gi.require_version("Gtk", "3.0")
from gi.repository import Gtk  # noqa: E402


def viewOf(model, **renderers):
    view = Gtk.TreeView(model=model)
    for number, (name, (renderer, attribute)) in enumerate(renderers.items()):
        view.append_column(Gtk.TreeViewColumn(name, renderer, **{attribute: number}))
    view.get_selection().set_mode(Gtk.SelectionMode.MULTIPLE)
    scrolled = Gtk.ScrolledWindow()
    scrolled.add(view)
    return scrolled


def toggle(_, row):
    table[row][2] = not table[row][2]


table = Gtk.ListStore(str, str, bool)
for row in range(1, 1001):
    table.append(["folder", f"File {row}", row % 2 == 0])
tick = Gtk.CellRendererToggle()
tick.connect("toggled", toggle)
outline = Gtk.TreeStore(str, str)
for folder in ("Desk", "Disk"):
    outline.append(outline.append(None, [folder, "folder"]), [f"in {folder}", "file"])
items = Gtk.ListBox(selection_mode=Gtk.SelectionMode.MULTIPLE)
for item in ("One", "Two", "Three"):
    items.add(Gtk.Label(label=item))
others = Gtk.Box(orientation=Gtk.Orientation.VERTICAL)
folders = viewOf(outline, Name=(Gtk.CellRendererText(), "text"), Kind=(Gtk.CellRendererText(), "text"))
folders.get_child().expand_row(Gtk.TreePath.new_first(), False)
for part in (folders, items, Gtk.Scale.new_with_range(Gtk.Orientation.HORIZONTAL, -5, 10, 1),
             Gtk.SpinButton.new_with_range(1, 9, 1)):
    others.pack_start(part, True, True, 0)
book = Gtk.Notebook()
book.append_page(viewOf(table, Icon=(Gtk.CellRendererPixbuf(), "icon_name"), Name=(Gtk.CellRendererText(), "text"),
                        On=(tick, "active")), Gtk.Label(label="Table"))
book.append_page(others, Gtk.Label(label="Others"))
window = Gtk.Window(title="Tables", default_width=500, default_height=400)
window.add(book)
window.connect("destroy", Gtk.main_quit)
window.show_all()
Gtk.main()
