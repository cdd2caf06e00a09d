# Rows "id;name;amount;flag" into one SQL statement.
import sys

import jinja2

TEMPLATE = """\
INSERT INTO payment (id, name, amount, flag) VALUES
{% for id, name, amount, flag in rows %}
    ({{ id }}, '{{ name }}', {{ amount }}, {{ flag }}){% if not loop.last %},{% endif +%}
{% endfor %}
;
"""

with open(sys.argv[1], encoding="ascii") as file:
    rows = [line.rstrip("\n").split(";") for line in file]
environment = jinja2.Environment(trim_blocks=True, keep_trailing_newline=True, newline_sequence="\r\n")
with open(sys.argv[2], "w", encoding="ascii", newline="") as file:
    file.write(environment.from_string(TEMPLATE).render(rows=rows))
