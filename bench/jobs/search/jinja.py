# Marked regions "[[key|value]]" out of free text.
import re
import sys

import jinja2

REGION = re.compile(r"\[\[\s*([A-Za-z_]\w*)\s*\|\s*(.+?)\s*\]\]", re.DOTALL)
TEMPLATE = """\
{% for key, value in regions %}
{{ key }} = {{ value }}
{% endfor %}
"""

with open(sys.argv[1], encoding="ascii") as file:
    regions = REGION.findall(file.read())
environment = jinja2.Environment(trim_blocks=True, keep_trailing_newline=True, newline_sequence="\r\n")
with open(sys.argv[2], "w", encoding="ascii", newline="") as file:
    file.write(environment.from_string(TEMPLATE).render(regions=regions))
