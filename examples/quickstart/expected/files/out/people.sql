INSERT INTO people (name, age, city) VALUES
    ('Ada Lovelace', 36, 'London'),
    ('Johannes Kepler', 58, 'Regensburg'),
    ('Grace Hopper', 85, 'Arlington')
;
