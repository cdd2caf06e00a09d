# A table rendered fifty times with conditions and separators.
import sys

import jinja2

TEMPLATE = """\
{% for page in range(1, 51) %}
{"page": {{ page }}, "rows": [
{% for row in rows %}
  {"id": {{ row.id }}, "name": "{{ row.name }}"\
{% if row.mail %}, "mail": "{{ row.mail }}"{% endif %}\
{% if row.state == "open" %}, "open": true{% endif %}\
{% if row.city %}, "city": "{{ row.city }}"{% endif +%},
{% if row.note %}
   "note": "{{ row.note }}",
{% endif %}
   "values": [{{ row["values"] | join(", ") }}]}{% if not loop.last %},{% endif +%}
{% endfor %}
]}{% if not loop.last %},{% endif +%}
{% endfor %}
"""


def read_row(line):
    identity, name, mail, state, city, *values, note = line.rstrip("\n").split(";")
    return {"id": identity, "name": name, "mail": mail, "state": state, "city": city, "values": values, "note": note}


with open(sys.argv[1], encoding="ascii") as file:
    rows = [read_row(line) for line in file]
environment = jinja2.Environment(trim_blocks=True, keep_trailing_newline=True, newline_sequence="\r\n")
with open(sys.argv[2], "w", encoding="ascii", newline="") as file:
    file.write(environment.from_string(TEMPLATE).render(rows=rows))
