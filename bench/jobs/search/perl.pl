# Marked regions "[[key|value]]" out of free text.
use strict;
use warnings;

my ($input, $output) = @ARGV;
open my $in, '<', $input or die "$input: $!";
open my $out, '>', $output or die "$output: $!";
local $/;
my $text = <$in>;
print $out "$1 = $2\r\n" while $text =~ /\[\[\s*([A-Za-z_]\w*)\s*\|\s*(.+?)\s*\]\]/gsa;
close $out or die "$output: $!";
