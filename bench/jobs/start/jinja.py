# The smallest program that writes a file from a template.
import sys

import jinja2

with open(sys.argv[2], "w", encoding="ascii", newline="") as file:
    file.write(jinja2.Template("Hello.\r\n", keep_trailing_newline=True, newline_sequence="\r\n").render())
