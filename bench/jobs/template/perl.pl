# A table rendered fifty times with conditions and separators.
use strict;
use warnings;

my ($input, $output) = @ARGV;
open my $in, '<', $input or die "$input: $!";
open my $out, '>', $output or die "$output: $!";
my @rows = map { chomp; [split /;/, $_, -1] } <$in>;

sub render_row {
    my ($id, $name, $mail, $state, $city, @values) = @{$_[0]};
    my $note = pop @values;
    return qq(  {"id": $id, "name": "$name")
      . ($mail ne '' ? qq(, "mail": "$mail") : '')
      . ($state eq 'open' ? ', "open": true' : '')
      . ($city ne '' ? qq(, "city": "$city") : '') . ",\r\n"
      . ($note ne '' ? qq(   "note": "$note",\r\n) : '')
      . '   "values": [' . join(', ', @values) . ']}';
}

sub render_page {
    my ($page) = @_;
    return qq({"page": $page, "rows": [\r\n) . join(",\r\n", map { render_row($_) } @rows) . "\r\n]}";
}

print $out join(",\r\n", map { render_page($_) } 1 .. 50), "\r\n";
close $out or die "$output: $!";
